<?xml version="1.0"?>
<!-- xsl:element and xsl:attribute with names and namespaces computed at run time. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:inv="urn:example:inventory" exclude-result-prefixes="inv">
  <xsl:template match="/catalog">
    <xsl:element name="inv:{name()}" namespace="urn:example:inventory">
      <xsl:for-each select="book">
        <xsl:element name="{@genre}">
          <xsl:attribute name="{concat('lang-', @lang)}">yes</xsl:attribute>
          <xsl:attribute name="ref" namespace="urn:example:refs"><xsl:value-of select="@id"/></xsl:attribute>
          <xsl:for-each select="*">
            <xsl:element name="{translate(name(), 'aeiou', 'AEIOU')}">
              <xsl:value-of select="."/>
            </xsl:element>
          </xsl:for-each>
        </xsl:element>
      </xsl:for-each>
      <xsl:element name="summary" namespace="urn:example:summary">
        <xsl:attribute name="books"><xsl:value-of select="count(book)"/></xsl:attribute>
      </xsl:element>
    </xsl:element>
  </xsl:template>
</xsl:stylesheet>
