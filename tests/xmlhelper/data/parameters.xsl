<?xml version="1.0"?>
<!-- Global and template parameters with defaults, overridden by with-param. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="currency" select="'EUR'"/>
  <xsl:param name="threshold">15</xsl:param>
  <xsl:param name="title-prefix"/>
  <xsl:variable name="rate" select="1.08"/>
  <xsl:template match="/catalog">
    <report currency="{$currency}" threshold="{$threshold}" prefix="[{$title-prefix}]">
      <xsl:apply-templates select="book"/>
      <xsl:apply-templates select="book[1]">
        <xsl:with-param name="label" select="'first'"/>
        <xsl:with-param name="factor" select="2"/>
      </xsl:apply-templates>
      <xsl:call-template name="summary"/>
      <xsl:call-template name="summary">
        <xsl:with-param name="what">overridden <xsl:value-of select="count(book)"/></xsl:with-param>
      </xsl:call-template>
    </report>
  </xsl:template>
  <xsl:template match="book">
    <xsl:param name="label" select="'normal'"/>
    <xsl:param name="factor" select="1"/>
    <line id="{@id}" label="{$label}" expensive="{price &gt; $threshold}"
          gross="{format-number(price * $rate * $factor, '0.00')}"/>
  </xsl:template>
  <xsl:template name="summary">
    <xsl:param name="what">default summary</xsl:param>
    <summary><xsl:copy-of select="$what"/></summary>
  </xsl:template>
</xsl:stylesheet>
