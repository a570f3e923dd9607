<?xml version="1.0"?>
<!-- Choices and string functions over a namespaced input. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:c="urn:example:contacts" exclude-result-prefixes="c">
  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>
  <xsl:template match="/c:contacts">
    <people count="{count(c:person)}">
      <xsl:apply-templates select="c:person"/>
    </people>
  </xsl:template>
  <xsl:template match="c:person">
    <xsl:variable name="name" select="normalize-space(c:name)"/>
    <person initials="{concat(substring($name, 1, 1), substring(substring-after($name, ' '), 1, 1))}"
            length="{string-length($name)}">
      <xsl:choose>
        <xsl:when test="@kind = 'staff' and c:phone[@type = 'mobile']">
          <xsl:attribute name="reach">mobile</xsl:attribute>
        </xsl:when>
        <xsl:when test="@kind = 'staff'">
          <xsl:attribute name="reach">desk</xsl:attribute>
        </xsl:when>
        <xsl:otherwise>
          <xsl:attribute name="reach">none</xsl:attribute>
        </xsl:otherwise>
      </xsl:choose>
      <name><xsl:value-of select="translate($name, $lower, $upper)"/></name>
      <xsl:if test="c:email">
        <mail user="{substring-before(c:email, '@')}"
              domain="{translate(substring-after(c:email, '@'), $upper, $lower)}"/>
      </xsl:if>
      <digits><xsl:value-of select="translate(c:phone[1], '+- ', '')"/></digits>
      <extra><xsl:value-of select="boolean(*[local-name() = 'note'])"/></extra>
    </person>
  </xsl:template>
</xsl:stylesheet>
